"""What the measuring scripts of this folder share."""
