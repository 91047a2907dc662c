"""What the tests in Python and bench/ share. It is found by way of PYTHONPATH=tests."""
