#pragma once

#include "foundation/Tstring.h"

#include <cstddef>

/**
 * The record of a class at run time. Making one enters it in the process's register, destroying it takes it out; both
 * may happen while a library is loaded or unloaded. A metaclass lives as long as the library of its class.
 */
class Tmetaclass
{
public:
    /** Makes an object. */
    using TconstructFunction = void* (*)();
    /** Makes an object in the memory given. */
    using TconstructInPlaceFunction = void* (*)(void* memory);

    /**
     * @param size  of an object, bytes
     * @param parent  metaclass of the base class; null for none
     * @param construct, constructInPlace  null for a class that can't be made this way
     */
    Tmetaclass(const char* name, unsigned size, const Tmetaclass* parent, TconstructFunction construct = nullptr,
               TconstructInPlaceFunction constructInPlace = nullptr);
    /** A class with two bases. */
    Tmetaclass(const char* name, unsigned size, const Tmetaclass* parent, const Tmetaclass* secondParent,
               TconstructFunction construct = nullptr, TconstructInPlaceFunction constructInPlace = nullptr);
    ~Tmetaclass();

    Tmetaclass(const Tmetaclass&) = delete;
    Tmetaclass& operator=(const Tmetaclass&) = delete;

    const char* name() const { return fName.asChar(); }
    unsigned size() const { return fSize; }
    const Tmetaclass* parent() const { return fParent; }
    const Tmetaclass* secondParent() const { return fSecondParent; }

    /** True for the class itself and for every class it derives from, however far; false for null. */
    bool istype(const Tmetaclass* other) const;

    /** A new object; null when the class can't be made. */
    void* construct() const { return fConstruct ? fConstruct() : nullptr; }
    /**
     * A new object in @p memory, which has size() bytes and the class's alignment; null when it can't be made there.
     */
    void* constructInPlace(void* memory) const
    {
        return fConstructInPlace && memory ? fConstructInPlace(memory) : nullptr;
    }

    /** The class of the name, of several the first one entered; null when there is none. */
    static Tmetaclass* find(const char* name);

private:
    Tstring fName;
    unsigned fSize;
    const Tmetaclass* fParent;
    const Tmetaclass* fSecondParent;
    TconstructFunction fConstruct;
    TconstructInPlaceFunction fConstructInPlace;
};
