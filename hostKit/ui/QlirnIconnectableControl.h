#pragma once

class QString;

/** A control whose value the host can tie to an attribute of its scene. */
class QlirnIconnectableControl
{
public:
    virtual ~QlirnIconnectableControl() = default;

    /** The expression that computes the attribute was replaced by @p expression. */
    virtual void newExpressionForConnections(const QString& expression) = 0;
};
