# BUNDLED_PLATFORM=OFF: the device's own platform libraries.
