// Marks what Ravelin.so exports; everything else is hidden.
#pragma once

#define RAVELIN_EXPORT __attribute__((visibility("default")))
