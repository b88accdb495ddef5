#pragma once

/// How the other loader of the process, the one of vellis, looks at the moment.
struct VellisSide {
    const void* pointer;    ///< the address of its pointer to glClear
    const void* function;   ///< what that holds
    const void* version2_1; ///< the address of its flag of GL 2.1
};

VellisSide vellisSide();

/// Clears the framebuffer to a grey through the pointers of vellis.
void clearThroughVellis(float grey);
