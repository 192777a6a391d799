// Data objects whose content may be taken later; they are declared with the rest of the shell.
#pragma once

#include "shlobj.h"
