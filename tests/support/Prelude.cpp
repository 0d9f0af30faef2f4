// Holds nothing: its target compiles the headers that every test includes.
