namespace kelsd {}
