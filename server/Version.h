/* The version of the module and its programs, for code and resource scripts. */
#ifndef NMFV_SERVER_VERSION_H
#define NMFV_SERVER_VERSION_H

#define NMFV_VERSION_MAJOR 1
#define NMFV_VERSION_MINOR 0
#define NMFV_VERSION_PATCH 0
#define NMFV_VERSION_BUILD 0
#define NMFV_VERSION_TEXT "1.0.0.0"

#endif
