/* The names and addresses that the pages show and open, for code and resource scripts. Whoever ships the module puts
   addresses of their own here and nowhere else; those of example.com lead nowhere. */
#ifndef NMFV_UI_PUBLISHED_NAMES_H
#define NMFV_UI_PUBLISHED_NAMES_H

#include "Product.h"

#define NMFV_COMPONENT_NAME "Nerin Multimedia Component"

#define NMFV_LINK_TARGET "https://www.example.com/"
#define NMFV_LINK_TEXT "www.example.com"
#define NMFV_HELP_SITE "https://help.example.com/" /* ends with a slash */

#define NMFV_NOTICE "Nerin Systems, %d" /* the year takes the place of %d */

#endif
