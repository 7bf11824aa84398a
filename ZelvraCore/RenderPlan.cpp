#include "ZelvraCore/RenderPlan.h"
