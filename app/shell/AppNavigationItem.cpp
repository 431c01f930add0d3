#include "app/shell/AppNavigationItem.h"
