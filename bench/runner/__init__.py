"""Measures the panel against limits and peers, and prints the tables: see bench/run."""
