set(ORVANE_QML_FILES qml/Main.qml)
set(ORVANE_QML_RESOURCES)
set_source_files_properties(qml/Main.qml PROPERTIES QT_RESOURCE_ALIAS Main.qml)
