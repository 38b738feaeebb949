/// Everything that the library offers, in one include.
#pragma once

#include "velmora/baseboard.h"
#include "velmora/cpu.h"
#include "velmora/devicekind.h"
#include "velmora/disk.h"
#include "velmora/fileprocess.h"
#include "velmora/memory.h"
#include "velmora/services.h"
#include "velmora/vediocard.h"
