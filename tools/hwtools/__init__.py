"""What the repository's Python tools and system tests share. Standard library only."""
