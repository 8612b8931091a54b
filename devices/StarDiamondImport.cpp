#include "devices/StarDiamondImport.h"
