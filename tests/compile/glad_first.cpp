// What another loader's header leaves behind.
#define GLAD_GL_H_

#include <vellis/gl.hpp>

int main() {}
