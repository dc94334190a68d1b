/// @file
/// Marks what Ravelin.so exports; everything else is hidden.
#pragma once

/// Marks a class or function that Ravelin.so exports.
#define RAVELIN_EXPORT __attribute__((visibility("default")))
