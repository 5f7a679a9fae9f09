#pragma once

#include "Graphics/3dPort/TstateValue.h"
#include "foundation/TstringArray.h"

class T3dPort;

/**
 * Holds a port's record of OpenGL state and the driver together. One table, a row per recorded state, says for each how
 * to ask the driver, what the record has, and how to send it: comparing and re-sending walk the table, so that a new
 * cached state is a field, a setter and a row.
 */
class T3dPortAudit
{
public:
    static TstateValues recorded(const T3dPort& port);
    static TstateValues ofDriver(const T3dPort& port);
    /** As T3dPort::stateDifferences; a line reads name, ": ", @p before, value of @p a, @p between, value of @p b. */
    static TstringArray differences(const TstateValues& a, const TstateValues& b, const char* before,
                                    const char* between);
    /** A line per state whose recorded value is not the driver's. Makes the port current. */
    static TstringArray differences(const T3dPort& port);
    /** Prints the differences on standard output. */
    static void printDifferences(const T3dPort& port);
    /** Sends the recorded state to the current context, as T3dPort::resendState says. */
    static void send(T3dPort& port);

private:
    struct Row;
    struct Table;
};
