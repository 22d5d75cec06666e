-- Demo centre data come with their subsystems.
SELECT 1;
