// Marks what libKv exports; everything else is hidden.
#pragma once

#define KV_EXPORT __attribute__((visibility("default")))
