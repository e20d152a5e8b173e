#include "entry/Host.h"

TervaneCommon* gHost = nullptr;
