/// Everything that the library offers, in one include.
#pragma once

#include "velmora/baseboard.h"
#include "velmora/battery.h"
#include "velmora/biosfun.h"
#include "velmora/cpu.h"
#include "velmora/devicekind.h"
#include "velmora/disk.h"
#include "velmora/hotinterface.h"
#include "velmora/memory.h"
#include "velmora/vediocard.h"
