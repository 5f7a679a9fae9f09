#pragma once

#include "Tdice.h"
#include "Tproblems.h"

#include <QMainWindow>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

class T3dPort;
struct TgalleryItem;

/**
 * A main window with docks and other windows around it, in which ports come and go. One port, the keeper, stays as long as
 * the desk, and the resources that ports share with it.
 */
class Tdesk
{
public:
    /** The same seed does the same things in the same order. */
    Tdesk(std::uint64_t seed, Tproblems& problems);
    ~Tdesk();
    Tdesk(const Tdesk&) = delete;
    Tdesk& operator=(const Tdesk&) = delete;

    /** False when the display gives no port a window. */
    bool isValid() const;
    /** Does one thing, and looks for what it may have done wrong. */
    void step();
    /** Closes all ports but the keeper. */
    void closeAll();

    /** Does no other operation but opening, closing and docking; false when there is none of that name. */
    bool setOnly(const std::string& operation);

    long operations() const { return fOperations; }
    long portsOpened() const;
    /** How often each operation was done, by name. */
    const std::map<std::string, long>& done() const { return fDone; }
    /** The keeper's window. */
    unsigned long window() const;

private:
    struct Topen;
    struct Toperation;
    static const Toperation kOperations[];

    void open(Tdice& dice);
    void close(std::size_t which, Tdice& dice);
    void place(Topen& open, Tdice& dice);
    void redock(Topen& open, Tdice& dice);
    void check(Topen& open);
    Topen& keeper() { return *fOpen.front(); }

    const std::uint64_t fSeed;
    Tproblems& fProblems;
    QMainWindow fMain;
    std::vector<std::unique_ptr<Topen>> fOpen; ///< the keeper first
    std::unique_ptr<Topen> fPicker;            ///< where OpenGL's selection picks
    std::map<std::string, long> fDone;
    std::string fOnly;
    long fOperations = 0;
};
