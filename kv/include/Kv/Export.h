/// @file
/// Marks what libKv exports; everything else is hidden.
#pragma once

/// Marks a class or function that libKv exports.
#define KV_EXPORT __attribute__((visibility("default")))
