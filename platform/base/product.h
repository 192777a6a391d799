// The product's name, for all of the layer that has to spell it. Macros, so that it can be part of longer literals.
#pragma once

#define ORB_PRODUCT "orb-launcher" // the program, its folders of cache and configuration, the start of its messages
#define ORB_PRODUCT_CLASS "Orb-launcher"
#define ORB_PRODUCT_TITLE "Orb Launcher"
