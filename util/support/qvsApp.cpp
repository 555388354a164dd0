// qvsApp.cpp - the application object, built with debug mask 0 before main.
#include "util/support/qvsApp.h"

APP::APP(unsigned level) : level(level) {}

bool APP::DebugLevel(unsigned mask) const { return (level & mask) != 0; }

APP TheApp(0);
