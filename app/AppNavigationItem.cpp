#include "app/AppNavigationItem.h"
