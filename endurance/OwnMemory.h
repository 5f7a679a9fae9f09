#pragma once

/**
 * What the library and the kit hold of the memory that C++ hands out, the Qt objects among it that they make. The heap as
 * a whole also has the driver's: Mesa (seen with 22.3) keeps some of every display list that was ever compiled, so that
 * it grows with the number of ports. Zero with the address sanitizer, which looks for leaks itself.
 */
namespace OwnMemory {

long bytes();
long blocks();

} // namespace OwnMemory
