#pragma once

#include "Comparison.h"

#include <QString>

#include <functional>
#include <vector>

class RawWindow;
class T3dPort;

/**
 * A pick among 10,000 named boxes by GL selection, in @p port and by the viewer's picker, beside the one written by hand in
 * @p raw; @p bindPort makes the port's context current. Adds the rows whose names contain @p filter. False, with the reason on the error output, when the
 * two sides do not pick the same.
 */
bool addPickingRow(const QString& filter, T3dPort& port, const std::function<void()>& bindPort, const RawWindow& raw,
                   std::vector<Row>& rows);
