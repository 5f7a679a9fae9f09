#include "foundation/Tmetaclass.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace {

struct Tregister
{
    std::mutex fMutex;
    std::vector<Tmetaclass*> fMetaclasses;
};

// Made by the first metaclass, and so outlives every metaclass.
Tregister& theRegister()
{
    static Tregister instance;
    return instance;
}

} // namespace

Tmetaclass::Tmetaclass(const char* name, unsigned size, const Tmetaclass* parent, TconstructFunction construct,
                       TconstructInPlaceFunction constructInPlace)
    : Tmetaclass(name, size, parent, static_cast<const Tmetaclass*>(nullptr), construct, constructInPlace)
{
}

Tmetaclass::Tmetaclass(const char* name, unsigned size, const Tmetaclass* parent, const Tmetaclass* secondParent,
                       TconstructFunction construct, TconstructInPlaceFunction constructInPlace)
    : fName(name), fSize(size), fParent(parent), fSecondParent(secondParent), fConstruct(construct),
      fConstructInPlace(constructInPlace)
{
    Tregister& all = theRegister();
    const std::lock_guard<std::mutex> guard(all.fMutex);
    all.fMetaclasses.push_back(this);
}

Tmetaclass::~Tmetaclass()
{
    Tregister& all = theRegister();
    const std::lock_guard<std::mutex> guard(all.fMutex);
    all.fMetaclasses.erase(std::find(all.fMetaclasses.begin(), all.fMetaclasses.end(), this));
}

bool Tmetaclass::istype(const Tmetaclass* other) const
{
    return other &&
           (this == other || (fParent && fParent->istype(other)) || (fSecondParent && fSecondParent->istype(other)));
}

Tmetaclass* Tmetaclass::find(const char* name)
{
    if (!name)
        return nullptr;
    Tregister& all = theRegister();
    const std::lock_guard<std::mutex> guard(all.fMutex);
    const auto found = std::find_if(all.fMetaclasses.begin(), all.fMetaclasses.end(),
                                    [name](const Tmetaclass* each) { return each->fName == name; });
    return found == all.fMetaclasses.end() ? nullptr : *found;
}
