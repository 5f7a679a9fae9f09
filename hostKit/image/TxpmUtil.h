#pragma once

#include "foundation/Tstring.h"
#include "foundation/TstringArray.h"

/** Where the bitmap files of the application are. */
class TxpmUtil
{
public:
    /**
     * The path of the file @p name. An absolute name is looked for as it is, any other one in the directories of
     * addSearchPath and then in those of the environment variable XBMLANGPATH. That one is a list with ":" between its
     * entries, each a directory, or a pattern with "%B" where the name goes.
     * @return empty when there is no such file that can be read
     */
    static Tstring getFullPathName(const Tstring& name);

    /** Looks in @p directory too, after those that were added before. For one thread at a time. */
    static void addSearchPath(const Tstring& directory);
    static const TstringArray& searchPath();
};
