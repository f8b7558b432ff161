"""The drawing of the Velloran dragon: geometry, paint, parts and poses."""
