// Holds nothing: the headers need a source to be compiled with.
