/// Everything that the library offers, in one include.
#pragma once

#include "velmora/audio.h"
#include "velmora/baseboard.h"
#include "velmora/biometric.h"
#include "velmora/cpu.h"
#include "velmora/devicedriver.h"
#include "velmora/devicekind.h"
#include "velmora/disk.h"
#include "velmora/fileprocess.h"
#include "velmora/keyboard.h"
#include "velmora/memory.h"
#include "velmora/networkadapter.h"
#include "velmora/networkcard.h"
#include "velmora/services.h"
#include "velmora/vediocard.h"
