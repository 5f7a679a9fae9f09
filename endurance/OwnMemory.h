#pragma once

/**
 * What the library, the kit and Qt hold of the memory that C++ hands out. The driver's memory is not in it, nor that of
 * the compiler inside the driver: Mesa (seen with 22.3) keeps some of every display list that was ever compiled, so that
 * the heap as a whole grows with the number of ports. Zero with the address sanitizer, which looks for leaks itself.
 */
namespace OwnMemory {

long bytes();
long blocks();

} // namespace OwnMemory
