// A library of nothing: what the linker puts into any.
