#include <gtest/gtest.h>

#include <QGuiApplication>

// The view-models need an event loop, and no display.
int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleTest(&argc, argv);
  const QGuiApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
