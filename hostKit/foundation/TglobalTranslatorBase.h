#pragma once

/** What the host is doing with the scene file. For the thread of the user interface. */
class TglobalTranslatorBase
{
public:
    /** True while a new file is being made. */
    static bool newingFileCondition() { return fsNewingFile; }
    static void setNewingFileCondition(bool on) { fsNewingFile = on; }
    /** True while the scene is being flushed. */
    static bool flushingSceneCondition() { return fsFlushingScene; }
    static void setFlushingSceneCondition(bool on) { fsFlushingScene = on; }

private:
    static bool fsNewingFile;
    static bool fsFlushingScene;
};
