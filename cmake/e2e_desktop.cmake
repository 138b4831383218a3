# End-to-end tests that drive the Wine desktop from the Linux side (clicks, screenshots).
