# The Linux port, on libraries that can live in a host's process.
find_package(EXPAT REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_check_modules(NETTLE REQUIRED IMPORTED_TARGET nettle)
pkg_check_modules(UUID REQUIRED IMPORTED_TARGET uuid)

add_library(wenlolib_port OBJECT
  posix/AtomicFile.cpp
  posix/BoundedRead.cpp
  posix/CalendarFormat.cpp
  posix/PosixFiles.cpp
  posix/PosixTime.cpp
  posix/Random.cpp
  posix/SystemCalls.cpp
  linux/Base64.cpp
  linux/BinaryPropertyListObjects.cpp
  linux/BinaryPropertyListReader.cpp
  linux/BinaryPropertyListScalars.cpp
  linux/ExpatParser.cpp
  linux/ExpatXml.cpp
  linux/LinuxBundles.cpp
  linux/LinuxPlatform.cpp
  linux/LinuxPrograms.cpp
  linux/LinuxPropertyLists.cpp
  linux/LinuxSystem.cpp
  linux/LinuxUser.cpp
  linux/LinuxUuids.cpp
  linux/LoadedFrom.cpp
  linux/MarkupRepair.cpp
  linux/NettleCrypto.cpp
  linux/PlainXml.cpp
  linux/PropertyListBuilder.cpp
  linux/PropertyListDates.cpp
  linux/PropertyListNumbers.cpp
  linux/PropertyListReader.cpp
  linux/PropertyListWriter.cpp
  linux/Utf16.cpp
  linux/XmlPropertyListDocument.cpp
  linux/XmlPropertyListReader.cpp
  linux/XmlText.cpp
)
target_link_libraries(wenlolib_port PUBLIC
  wenlolib_core EXPAT::EXPAT PkgConfig::NETTLE PkgConfig::UUID ${CMAKE_DL_LIBS})
