#pragma once

/** What the host is doing with the scene file. For the thread of the user interface. */
class TglobalTranslatorBase
{
public:
    /** True while a new file is being made. */
    static bool newingFileCondition() { return fsConditions & kNewingFile; }
    static void setNewingFileCondition(bool on) { assign(kNewingFile, on); }
    /** True while the scene is being flushed. */
    static bool flushingSceneCondition() { return fsConditions & kFlushingScene; }
    static void setFlushingSceneCondition(bool on) { assign(kFlushingScene, on); }

private:
    // In one word, so that asking for both costs no more than asking for one.
    enum : unsigned { kNewingFile = 0x1, kFlushingScene = 0x2 };

    static void assign(unsigned condition, bool on)
    {
        fsConditions = (fsConditions & ~condition) | (on ? condition : 0);
    }

    static unsigned fsConditions;
};
