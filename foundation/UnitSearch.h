#pragma once

/// Index of the first of `length` units, from `start` on, that equals `unit`; `length` when there is none.
unsigned long findUnit(unsigned short const* text, unsigned long length, unsigned long start,
                       unsigned short unit);

/// Index of the first occurrence of `whatLength` units, from `start` on; `length` when there is none.
/// `whatLength` is at least 1.
unsigned long findUnits(unsigned short const* text, unsigned long length, unsigned long start,
                        unsigned short const* what, unsigned long whatLength);
