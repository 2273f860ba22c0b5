// A library of nothing: what the linker and the C runtime put into any.
