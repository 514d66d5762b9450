namespace slp {}
