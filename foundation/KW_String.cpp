#include "foundation/KW_String.h"
