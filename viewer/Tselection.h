#pragma once

#include <cstdint>
#include <vector>

/** What the user picked: objects of the model, or some of its faces or vertices. */
class Tselection
{
public:
    enum Tkind { kObjects, kFaces, kVertices };

    struct Titem
    {
        std::uint32_t fObject;
        std::uint32_t fElement; ///< the face or vertex, counted through the model; 0 for an object

        friend bool operator==(const Titem& a, const Titem& b)
        {
            return a.fObject == b.fObject && a.fElement == b.fElement;
        }
        friend bool operator<(const Titem& a, const Titem& b)
        {
            return a.fObject != b.fObject ? a.fObject < b.fObject : a.fElement < b.fElement;
        }
    };

    bool isEmpty() const { return fItems.empty(); }
    Tkind kind() const { return fKind; }
    /** In ascending order, each once. */
    const std::vector<Titem>& items() const { return fItems; }
    bool contains(const Titem& item) const;

    void clear() { set(kObjects, {}); }
    void set(Tkind kind, std::vector<Titem> items);

private:
    Tkind fKind = kObjects;
    std::vector<Titem> fItems;
};
