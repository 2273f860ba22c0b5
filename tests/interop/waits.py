"""How long things may take."""

# How long the chassis waits for a controller, and the longest that the tool may then take.
TIMEOUT_MS = 1500
PATIENCE = 5
