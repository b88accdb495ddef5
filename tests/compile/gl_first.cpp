// What the header of GL itself leaves behind.
#define __gl_h_

#include <vellis/gl.hpp>

int main() {}
