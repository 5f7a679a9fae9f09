#pragma once

#include "foundation/Tstring.h"

class QWidget;
struct QMetaObject;

/** What kinds of control the commands make. */
class QlirnUiObjectType
{
public:
    /**
     * Enters the class of the controls that a command makes, in place of an earlier entry for the command.
     * @param typeName  the name of the kind, which need not be the command's
     * @return false for a null or empty argument
     */
    static bool registerUiObjectType(const char* commandName, const QMetaObject* metaObject, const char* typeName);

    /** The kind that the command makes; empty for an unknown command. */
    static Tstring typeName(const char* commandName);

    /**
     * The kind of a widget: its Qt property "objectTypeUI", else what is registered for its class or the nearest base
     * class. Empty when there is neither.
     */
    static Tstring typeName(const QWidget* widget);
};
