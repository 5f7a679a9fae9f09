#pragma once

#include "Graphics/Export.h"

/**
 * Searches the hit records of a GL selection (T3dPort::beginSelect, glSelectBuffer).
 *
 * The records follow one another without gaps. One is 3 + n words long: the number n of names, the least and the
 * greatest depth (0 near, 0xFFFFFFFF far), and the names, outermost first. A record is handed out as a pointer to its
 * names. Only records that lie in the buffer as a whole are; one that claims more names than there is room for ends the
 * search.
 *
 * @code
 *     unsigned words[512];
 *     port.beginSelect(words, 512);
 *     draw();
 *     const int hits = port.endSelect();
 *     unsigned zmin, count;
 *     const unsigned* names = TpickBuffer(512, words).closestElem(hits, zmin, count);
 * @endcode
 */
class LIRN_3DGRAPHICS_EXPORT TpickBuffer
{
public:
    /**
     * Wraps @p buffer of @p size words, which stays the caller's; for a null pointer allocates @p size words, all zero.
     * A negative size counts as 0, as does one that there is no memory for.
     */
    TpickBuffer(int size, unsigned* buffer);
    ~TpickBuffer();

    TpickBuffer(const TpickBuffer&) = delete;
    TpickBuffer& operator=(const TpickBuffer&) = delete;

    unsigned* buffer() const { return fBuffer; }
    int size() const { return fSize; }

    /**
     * The record after the one with the names at @p prev, the first one for null. The buffer does not know how many
     * records it holds: stop after as many as endSelect returned.
     * @param zmin   set to the least depth
     * @param count  set to the number of names
     * @return null, with @p zmin 0xFFFFFFFF and @p count 0, when no whole record is left
     */
    unsigned* nextElem(unsigned* prev, unsigned& zmin, unsigned& count) const;

    /**
     * The nearest of the first @p hits records that have a name; the first of several at one depth.
     * @return null, with @p zmin 0xFFFFFFFF and @p count 0, when there is none
     */
    unsigned* closestElem(int hits, unsigned& zmin, unsigned& count) const;

    /**
     * As above among the records of the highest priority, which is the innermost name AND @p mask.
     * @param priority  set to the priority found, 0 without any
     */
    unsigned* closestElem(int hits, unsigned mask, unsigned& zmin, unsigned& count, unsigned& priority) const;

private:
    unsigned* fBuffer;
    int fSize; ///< in words
    bool fOwned;
};
