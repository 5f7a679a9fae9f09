#pragma once

#include <map>
#include <string>
#include <vector>

/** What the process holds at one time. Taken with all ports closed, the same each time but for caches that fill. */
struct Tcensus
{
    double fSeconds = 0;
    long fOperations = 0;
    long fPortsOpened = 0;
    long fResident = 0;                  ///< KB
    long fHeap = 0;                      ///< bytes handed out by malloc, the driver's among them
    long fOwn = 0;                       ///< bytes of OwnMemory
    long fOwnBlocks = 0;                 ///< blocks of OwnMemory
    long fContexts = 0;                  ///< native contexts created and not destroyed
    long fLists = 0;                     ///< display lists of the contexts that share with the current one
    long fTextures = 0;                  ///< textures, likewise
    std::map<std::string, long> fServer; ///< resources of the client as the X server counts them, by type

    /** Fills in all but what the caller counts. @p resource  any X resource of the client */
    static Tcensus take(unsigned long resource);
    static long contextsCreated();

    long server(const char* type) const;
    /** The bytes that the heap has for a reason: each port leaves the record of its context behind. */
    long explained() const;
};

/** Growth from the second quarter of a run to its last one, in which nothing is left to warm up. */
struct Tgrowth
{
    explicit Tgrowth(const std::vector<Tcensus>& counts);

    double fOwnRate = 0;      ///< KB per 1000 operations, beyond what is explained
    double fHeapRate = 0;     ///< KB per 1000 operations
    double fResidentRate = 0; ///< KB per 1000 operations
    /** Types of X resources of which there never were as few in the last quarter as at most in the second. */
    std::vector<std::string> fServerTypes;
    bool fContextsGrew = false;
    bool fObjectsGrew = false; ///< display lists or textures
};
