#pragma once

#include <cstddef>
#include <utility>

/** Holds one counted reference to a TsharedObject, and deletes it with the last one. May be null. */
template <class T> class TcountedPtr
{
public:
    TcountedPtr() noexcept = default;
    TcountedPtr(std::nullptr_t) noexcept {}
    TcountedPtr(T* object) : fObject(object)
    {
        if (fObject)
            fObject->add();
    }
    TcountedPtr(const TcountedPtr& other) : TcountedPtr(other.fObject) {}
    TcountedPtr(TcountedPtr&& other) noexcept : fObject(std::exchange(other.fObject, nullptr)) {}
    ~TcountedPtr() { drop(fObject); }

    // By value: the new object is counted before the old one is let go, which may be all that keeps the new one alive.
    TcountedPtr& operator=(TcountedPtr other) noexcept
    {
        std::swap(fObject, other.fObject);
        return *this;
    }
    void reset(T* object = nullptr) { *this = TcountedPtr(object); }

    T* get() const noexcept { return fObject; }
    T* operator->() const noexcept { return fObject; }
    T& operator*() const noexcept { return *fObject; }
    explicit operator bool() const noexcept { return fObject != nullptr; }

    friend bool operator==(const TcountedPtr& a, const TcountedPtr& b) noexcept { return a.fObject == b.fObject; }
    friend bool operator!=(const TcountedPtr& a, const TcountedPtr& b) noexcept { return a.fObject != b.fObject; }
    // Without these a comparison would count the object, and let go the only reference to one not counted before.
    friend bool operator==(const TcountedPtr& a, const T* b) noexcept { return a.fObject == b; }
    friend bool operator!=(const TcountedPtr& a, const T* b) noexcept { return a.fObject != b; }
    friend bool operator==(const TcountedPtr& a, std::nullptr_t) noexcept { return !a.fObject; }
    friend bool operator!=(const TcountedPtr& a, std::nullptr_t) noexcept { return a.fObject; }

private:
    static void drop(T* object)
    {
        if (object && object->remove() == 0)
            delete object;
    }

    T* fObject = nullptr;
};
