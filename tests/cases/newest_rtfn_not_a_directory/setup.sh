: > afile
