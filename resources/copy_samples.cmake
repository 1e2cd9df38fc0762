# Copies the sample folder with ordinary file permissions: the source may be read-only,
# and a read-only copy could not be refreshed by the next build.
file(COPY "${SOURCE}/" DESTINATION "${DESTINATION}" NO_SOURCE_PERMISSIONS)
