# The link library for programs of others: static library, headers, CMake package and pkg-config
# file. It stays free of Qt: the meta-types (orv_metatypes) are for programs that send records
# through queued signals, which need no more than Q_DECLARE_METATYPE of their own.
include(CMakePackageConfigHelpers)

add_library(orv::decoder ALIAS orv_decoder)
set_target_properties(orv_decoder PROPERTIES EXPORT_NAME decoder)

# Not here: metatypes.h, which needs Qt, and native_socket.h, which no other header includes.
set(orv_public_headers
  ByteReader.h
  ByteWriter.h
  ControlFrame.h
  Crc8.h
  DatagramSocket.h
  EcuNetworkSettings.h
  FailureReason.h
  FirmwareVersion.h
  LiveRecord.h
  MseqStep.h
  OrvCtrlClient.h
  OrvCtrlSocket.h
  OrvCtrlSocketBase.h
  OrvDecoder.h
  OrvFreespacePackage.h
  OrvMeasurementResult.h
  OrvSensorPosition.h
  OrvSocketBase.h
  OrvUdpSocket.h
  SensorMountPosition.h
  SensorThreshold.h
  ShortTimeout.h
  ValidFlag.h
  build_info.h
  constants.h
  tables.h)

set(orv_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/orv-decoder")
configure_package_config_file(orv-decoder-config.cmake.in orv-decoder-config.cmake
  INSTALL_DESTINATION "${orv_package_dir}")
write_basic_package_version_file(orv-decoder-config-version.cmake COMPATIBILITY SameMajorVersion)
# Found from its own place, so that the tree may be moved after its installation.
file(RELATIVE_PATH orv_prefix_from_pc
  "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
configure_file(orv-decoder.pc.in orv-decoder.pc @ONLY)

install(TARGETS orv_decoder EXPORT orv-decoder-targets
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development)
install(FILES ${orv_public_headers}
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/orv_decoder" COMPONENT development)
install(EXPORT orv-decoder-targets NAMESPACE orv::
  DESTINATION "${orv_package_dir}" COMPONENT development)
install(
  FILES "${CMAKE_CURRENT_BINARY_DIR}/orv-decoder-config.cmake"
        "${CMAKE_CURRENT_BINARY_DIR}/orv-decoder-config-version.cmake"
  DESTINATION "${orv_package_dir}" COMPONENT development)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/orv-decoder.pc"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)
install(FILES README.md
  DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/liborv-decoder-dev" COMPONENT development)
install(FILES examples/CMakeLists.txt examples/nearest_echoes.cpp
  DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/liborv-decoder-dev/examples" COMPONENT development)
