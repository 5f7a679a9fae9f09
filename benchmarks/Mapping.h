#pragma once

#include "Comparison.h"

#include <QString>

#include <vector>

/**
 * Mapping between world and port in blocks of a thousand points, beside GLU and beside what a program writes for itself
 * when it keeps the product of its matrices and its inverse. The ray of a pixel takes two calls of gluUnProject, for
 * its ends. Adds the rows whose name contains @p filter.
 */
void addMappingRows(const QString& filter, std::vector<Row>& rows);
