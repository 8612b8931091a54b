#include "devices/UcbLink.h"
