/// @file
/// Everything that libKv offers.
#pragma once

#include "Kv/Path.h"
#include "Kv/Progress.h"
#include "Kv/Raster.h"
#include "Kv/Services.h"
#include "Kv/Stream.h"
#include "Kv/Text.h"
#include "Kv/Transform2D.h"
#include "Kv/VarA.h"
#include "Kv/Vec.h"
#include "Kv/XIni.h"
#include "Kv/XmlItem.h"
