// Kept for the folders that include the capture from here; the one copy is in
// tests/support/.
#pragma once
#include "tests/support/log_capture.h"
