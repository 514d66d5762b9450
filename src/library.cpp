// Anchor of the shared library; everything in it comes from the folders beside.
