# Install rules; filled as the libraries come.
