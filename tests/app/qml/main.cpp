#include "tests/app/qml/ComponentSetup.h"

#include <QtQuickTest>

using orvane::ComponentSetup;

QUICK_TEST_MAIN_WITH_SETUP(components, ComponentSetup)
