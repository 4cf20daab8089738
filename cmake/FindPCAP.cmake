# PCAP::PCAP, the packet capture library. It is asked for its capture files alone, which need no
# rights.
find_path(PCAP_INCLUDE_DIR pcap/pcap.h)
find_library(PCAP_LIBRARY NAMES pcap wpcap)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(PCAP REQUIRED_VARS PCAP_LIBRARY PCAP_INCLUDE_DIR)
if(PCAP_FOUND AND NOT TARGET PCAP::PCAP)
  add_library(PCAP::PCAP UNKNOWN IMPORTED)
  set_target_properties(PCAP::PCAP PROPERTIES
    IMPORTED_LOCATION "${PCAP_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${PCAP_INCLUDE_DIR}")
endif()
mark_as_advanced(PCAP_INCLUDE_DIR PCAP_LIBRARY)
