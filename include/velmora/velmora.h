/// Everything that the library offers, in one include.
#pragma once

#include "velmora/baseboard.h"
#include "velmora/bluetooth.h"
#include "velmora/cpu.h"
#include "velmora/devicedriver.h"
#include "velmora/devicekind.h"
#include "velmora/disk.h"
#include "velmora/memory.h"
#include "velmora/vediocard.h"
