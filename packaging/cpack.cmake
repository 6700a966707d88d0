# Debian packages with CPack's DEB generator, one per install component (see
# packaging/CMakeLists.txt): stbavd, avhost, stbav-board. Shared-library
# dependencies come from dpkg-shlibdeps; the daemon depends on the board package
# of the same version, whose private library folder it loads from.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME stbav)
set(CPACK_PACKAGE_VERSION ${STBAV_VERSION})
set(CPACK_PACKAGE_VENDOR "stbav developers")
set(CPACK_PACKAGE_CONTACT "stbav developers <stbav-dev@lists.stbav.invalid>")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL daemon host board)
set(CPACK_DEB_COMPONENT_INSTALL ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/sim)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)

set(CPACK_DEBIAN_DAEMON_PACKAGE_NAME stbavd)
set(CPACK_DEBIAN_DAEMON_PACKAGE_SECTION admin)
set(CPACK_COMPONENT_DAEMON_DEPENDS board)
set(CPACK_DEBIAN_DAEMON_DESCRIPTION
  "audio/video subsystem daemon of a two-board receiver-decoder
stbavd runs on the decoder board: it takes configuration from the host
controller board over a serial line, drives the media library and reports
the decoder's status back on the same line. This package runs it on a PC
against the virtual decoder board (stbav-board), with a systemd unit for a
lab PC (one instance per serial device) and the board's Android init
service as an example.")
file(WRITE ${PROJECT_BINARY_DIR}/packaging/daemon/conffiles "${STBAV_CONFDIR}/tevrin-log4cpp.init\n")
set(CPACK_DEBIAN_DAEMON_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/packaging/daemon/conffiles)

set(CPACK_DEBIAN_HOST_PACKAGE_NAME avhost)
set(CPACK_DEBIAN_HOST_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_HOST_DESCRIPTION
  "host controller's side of the stbav serial line
avhost sends configuration operations to the stbav daemon over a serial line,
as the host controller board does, and shows the status the daemon reports,
decoded with the operation dictionary. It records and decodes captures and
uploads upgrade packages. The host integration guide comes with it.")

set(CPACK_DEBIAN_BOARD_PACKAGE_NAME stbav-board)
set(CPACK_DEBIAN_BOARD_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_BOARD_DESCRIPTION
  "virtual decoder board for the stbav daemon
A media library with the decoder board's C API, implemented over a state
model of a board, so that the stbav daemon runs unchanged on a PC. It takes
scenario files or MPEG-TS files as input, injects faults, keeps a journal of
every call and is steered through a control socket.")

# The Python rigs: modules only, for every architecture (packaging/CMakeLists.txt).
list(APPEND CPACK_COMPONENTS_ALL python)
set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-stbav)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "python3:any (>= 3.11)")
set(CPACK_DEBIAN_PYTHON_PACKAGE_RECOMMENDS "python3-pytest, python3-serial")
set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS "stbavd, avhost")
set(CPACK_DEBIAN_PYTHON_DESCRIPTION
  "Python test rigs for the stbav daemon
A link that talks to the stbav daemon over its serial line by operation name
(typed values, format codes as text, waiting for reports), the virtual
decoder board's control socket, and pcap captures of the line as avhost
writes them. Its pytest plugin starts the daemon on the virtual board per
test (fixtures daemon, host, board), or points the same tests at a real
board on a serial device.")

# The C host library: headers, static library, pkg-config file (packaging/CMakeLists.txt).
list(APPEND CPACK_COMPONENTS_ALL hostlib)
set(CPACK_DEBIAN_HOSTLIB_PACKAGE_NAME libstbavhost-dev)
set(CPACK_DEBIAN_HOSTLIB_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_HOSTLIB_DESCRIPTION
  "C library for the host side of the stbav serial line
A small C99 library for the firmware of the host controller board that talks
to the stbav daemon: it writes whole byte-stuffed frames of operations typed
by the operation dictionary, decodes the daemon's reports from a byte stream
with bounded memory, and packs and unpacks the 32-bit video format code. It
uses no heap, no stdio and no operating system calls, so it builds for a
microcontroller. Headers, static library and pkg-config file.")

include(CPack)
