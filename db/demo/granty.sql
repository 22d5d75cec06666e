-- Demo grant data come with the grant subsystem.
SELECT 1;
