# Installation: headers, library, CMake package, pkg-config file, licence.
